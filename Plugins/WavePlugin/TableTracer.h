#pragma once

#include "Plugins/WavePlugin/ResourceTracer.h"
#include "Plugins/WavePlugin/StructureFileWriter.h"
#include "Plugins/WavePlugin/WideCompare.h"

#include <array>
#include <bit>
#include <cstddef>
#include <span>
#include <string>
#include <utility>
#include <vector>

// Whether the structure document lists a signal.
enum Listing { Hidden, Shown };

// One signal of a resource: a row of its tracer's table. Row order is output order.
template<typename State>
struct SignalRow {
    const char* letter;         // names the signal in identifiers
    unsigned int width;         // in bits
    unsigned int State::*field; // the word that it shows
    const char* suffix;         // behind the resource's name
    Listing listing;
};

// What a value line shows.
struct SignalValue {
    unsigned int width;
    std::uint64_t value;
};

// The shared half of the tracers whose signals stand in a table: each resource has one record, and each
// row of the table shows one word of it. A clock has two steps: all records are polled, then each is
// compared, as a whole, with what was last written. The order matters: see `changedWords`.
//
// What a record can't say word by word (a width that depends on the state, a number that shows as a text)
// the tracer says with a reader: a function that takes a record, once for each record that is written, and
// gives a function from row to `SignalValue`.
template<typename State>
class TableTracer : public ResourceTracer {
protected:
    using Row = SignalRow<State>;

    // The rows must outlive the tracer.
    TableTracer(TracePluginCallbacks* callbacks, unsigned int pid, std::string coreName, const char* prefix,
                std::span<const Row> rows, unsigned int count)
        : ResourceTracer(callbacks, pid, std::move(coreName)),
          m_letterPrefix(prefix),
          m_rows(rows),
          m_count(count) {
        prepare();
    }

    // A tracer of the whole device.
    TableTracer(TracePluginCallbacks* callbacks, const char* prefix, std::span<const Row> rows,
                unsigned int count)
        : ResourceTracer(callbacks), m_letterPrefix(prefix), m_rows(rows), m_count(count) {
        prepare();
    }

    unsigned int count() const { return m_count; }

    // ---------------------------------------------------------------- before the first clock

    // The `$var` lines of one resource.
    void declareSignals(FILE* fp, unsigned int resource, const std::string& name) {
        declareSignals(fp, resource, name, [](const Row& row) { return row.width; });
    }

    template<typename WidthOf>
    void declareSignals(FILE* fp, unsigned int resource, const std::string& name, const WidthOf& widthOf) {
        for (const Row& row : m_rows)
            std::fprintf(fp, "$var wire %d %s %s%s%s $end\n", widthOf(row),
                         getTag(m_letterPrefix, row.letter, resource), getPrefix(), name.c_str(), row.suffix);
    }

    // The signals of one resource in the structure document, in a group of their own.
    void listGroup(StructureFileWriter* writer, const std::string& name) {
        writer->openGroup(name);
        for (const Row& row : m_rows) {
            if (row.listing == Shown)
                writer->addSignal(getPrefix() + name + row.suffix, true, "HEX", true);
        }
        writer->closeGroup();
    }

    // The first values of all polled records.
    template<typename Reader>
    void writeAll(FILE* fp, const Reader& reader) {
        std::fputs("$dumpvars\n", fp);
        LineStream stream(fp);
        bool firstChange = false; // no time line: the first values stand before the first one
        for (unsigned int resource = 0; resource < m_count; ++resource)
            writeRows(stream, &firstChange, resource, (1U << m_rows.size()) - 1, reader);
        std::fputs("$end\n\n", fp);
    }

    void writeAll(FILE* fp) { writeAll(fp, asRecorded); }

    // ---------------------------------------------------------------- on each clock

    // Asks for the states of all resources. The function takes a resource's number and its record, which
    // begins as zeros and is the same on every clock; what it points to isn't used.
    template<typename Poll>
    void pollAll(const Poll& poll) {
        Record* const polled = m_polled.data();
        for (unsigned int resource = 0, count = m_count; resource < count; ++resource)
            poll(resource, &polled[resource].state);
    }

    // Writes the signals of which the polled word isn't the one last written.
    template<typename Reader>
    void writeChanges(FILE* fp, bool* firstChange, const Reader& reader) {
        LineStream stream(fp);
        const Record* const polled = m_polled.data();
        const Record* const written = m_written.data();
        const std::uint32_t shownWords = m_shownWords;
        for (unsigned int resource = 0, count = m_count; resource < count; ++resource) {
            const std::uint32_t words = wordsToWrite(polled[resource], written[resource], shownWords);
            if (words != 0) [[unlikely]]
                writeRows(stream, firstChange, resource, rowsOf(words), reader);
        }
    }

    void writeChanges(FILE* fp, bool* firstChange) { writeChanges(fp, firstChange, asRecorded); }

    // The reader of tracers whose records say everything.
    static constexpr auto asRecorded = [](const State& state) {
        return [&state](const Row& row) { return SignalValue{row.width, state.*row.field}; };
    };

private:
    struct alignas(16) Record {
        State state;
    };
    static constexpr unsigned int s_words = 2 * s_comparedWords; // of a record that are compared
    static_assert(sizeof(Record) >= s_words * sizeof(std::uint32_t));

    void prepare() {
        m_polled.resize(m_count);
        m_written.resize(m_count);
        const State probe{};
        for (std::size_t i = 0; i < m_rows.size(); ++i) {
            const auto* field = reinterpret_cast<const std::byte*>(&(probe.*m_rows[i].field));
            const auto offset = static_cast<std::size_t>(field - reinterpret_cast<const std::byte*>(&probe));
            const std::size_t word = offset / sizeof(std::uint32_t);
            m_shownWords |= 1U << word;
            m_rowOfWord[word] = static_cast<std::uint8_t>(i);
        }
        m_identifiers.reserve(m_count * m_rows.size());
        for (unsigned int resource = 0; resource < m_count; ++resource) {
            for (const Row& row : m_rows)
                m_identifiers.emplace_back(m_letterPrefix, m_tag, row.letter, resource);
        }
    }

    // One bit a word that some row shows and that differs.
    static std::uint32_t wordsToWrite(const Record& polled, const Record& written, std::uint32_t shownWords) {
        std::uint32_t words = changedWords(&polled, &written);
        if (shownWords >> s_comparedWords != 0) {
            constexpr std::size_t upper = s_comparedWords * sizeof(std::uint32_t);
            words |= changedWords(reinterpret_cast<const std::byte*>(&polled) + upper,
                                  reinterpret_cast<const std::byte*>(&written) + upper)
                     << s_comparedWords;
        }
        return words & shownWords;
    }

    // The rows that show these words, as one bit a row.
    std::uint32_t rowsOf(std::uint32_t words) const {
        std::uint32_t rows = 0;
        for (; words != 0; words &= words - 1)
            rows |= 1U << m_rowOfWord[static_cast<std::size_t>(std::countr_zero(words))];
        return rows;
    }

    template<typename Reader>
    void writeRows(LineStream& stream, bool* firstChange, unsigned int resource, std::uint32_t rows,
                   const Reader& reader) {
        const State& polled = m_polled[resource].state;
        State& written = m_written[resource].state;
        const Row* const table = m_rows.data();
        const Identifier* const identifiers = &m_identifiers[resource * m_rows.size()];
        const auto read = reader(polled);
        for (; rows != 0; rows &= rows - 1) {
            const auto i = static_cast<std::size_t>(std::countr_zero(rows));
            const Row& row = table[i];
            const SignalValue signal = read(row);
            printCycles(stream, firstChange);
            output(stream, signal.width, signal.value, identifiers[i]);
            written.*row.field = polled.*row.field;
        }
    }

    const char* m_letterPrefix; // what the tracer's identifiers begin with
    std::span<const Row> m_rows;
    unsigned int m_count;                               // of resources; fixed for the whole run
    std::vector<Record> m_polled;                       // the states of this clock
    std::vector<Record> m_written;                      // shown words: as last written; others: unused
    std::vector<Identifier> m_identifiers;              // by resource, then by row
    std::uint32_t m_shownWords = 0;                     // one bit a word
    std::array<std::uint8_t, s_words> m_rowOfWord = {}; // for shown words
};
