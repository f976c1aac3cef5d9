#pragma once

#include "Plugins/WavePlugin/ResourceTracer.h"
#include "Plugins/WavePlugin/StructureFileWriter.h"
#include "Plugins/WavePlugin/WideCompare.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstring>
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
// compared, as a whole, with what was last written. The order matters: see WideCompare.h.
//
// What a record can't say word by word (a width that depends on the state, a number that shows as a text)
// the tracer says with a reader: a function that takes a record, once for each record that is written, and
// gives a function from row to `SignalValue`.
//
// `Begin` and `End` are offsets into a record: all shown words stand between, and the closer the two the
// better, since what stands between is compared on every clock.
template<typename State, std::size_t Begin, std::size_t End>
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

    // Asks for the states of all resources. The function takes a resource's number and its record, of which
    // what is compared begins as zeros; what a record points to isn't used.
    template<typename Poll>
    void pollAll(const Poll& poll) {
        State* const polled = m_polled.data();
        for (unsigned int resource = 0, count = m_count; resource < count; ++resource) {
            clearRecord<s_pieces>(comparedBytes(&polled[resource]));
            poll(resource, &polled[resource]);
        }
    }

    // Writes the signals of which the polled word isn't the one last written.
    template<typename Reader>
    void writeChanges(FILE* fp, bool* firstChange, const Reader& reader) {
        if (m_count == 0)
            return;
        LineStream stream(fp);
        const RecordsToCompare records{comparedBytes(m_polled.data()), sizeof(State), m_written[0].bytes,
                                       m_hiddenWordsChange ? m_shownBits.bytes : nullptr};
        for (std::size_t i = 0; (i = nextChanged<s_pieces>(records, i, m_count)) < m_count; ++i) {
            const auto resource = static_cast<unsigned int>(i);
            writeRows(stream, firstChange, resource, rowsToWrite(resource), reader);
        }
    }

    void writeChanges(FILE* fp, bool* firstChange) { writeChanges(fp, firstChange, asRecorded); }

    // The reader of tracers whose records say everything.
    static constexpr auto asRecorded = [](const State& state) {
        return [&state](const Row& row) { return SignalValue{row.width, state.*row.field}; };
    };

private:
    static constexpr std::size_t s_pieces = piecesOf(End - Begin);

    // As much of a record as is compared.
    struct alignas(s_pieceBytes) Written {
        std::byte bytes[s_pieces * s_pieceBytes];
    };
    static_assert(Begin + sizeof(Written) <= sizeof(State));

    static std::byte* comparedBytes(State* state) { return reinterpret_cast<std::byte*>(state) + Begin; }
    static const std::byte* comparedBytes(const State* state) {
        return reinterpret_cast<const std::byte*>(state) + Begin;
    }

    void prepare() {
        m_polled.resize(m_count);
        m_written.resize(m_count);
        const State probe{};
        for (std::size_t i = 0; i < m_rows.size(); ++i) {
            const auto* field = reinterpret_cast<const std::byte*>(&(probe.*m_rows[i].field));
            const std::size_t word =
                static_cast<std::size_t>(field - comparedBytes(&probe)) / sizeof(std::uint32_t);
            m_shownWords |= 1U << word;
            std::fill_n(m_shownBits.bytes + word * sizeof(std::uint32_t), sizeof(std::uint32_t),
                        std::byte{0xff});
            m_rowOfWord[word] = static_cast<std::uint8_t>(i);
        }
        m_identifiers.reserve(m_count * m_rows.size());
        for (unsigned int resource = 0; resource < m_count; ++resource) {
            for (const Row& row : m_rows)
                m_identifiers.emplace_back(m_letterPrefix, m_tag, row.letter, resource);
        }
    }

    // The rows that show a word which isn't the one last written, as one bit a row.
    std::uint32_t rowsToWrite(unsigned int resource) {
        std::uint32_t words =
            changedWords<s_pieces>(comparedBytes(&m_polled[resource]), m_written[resource].bytes);
        if ((words & ~m_shownWords) != 0)
            m_hiddenWordsChange = true; // they may do so on every clock
        std::uint32_t rows = 0;
        for (words &= m_shownWords; words != 0; words &= words - 1)
            rows |= 1U << m_rowOfWord[static_cast<std::size_t>(std::countr_zero(words))];
        return rows;
    }

    // Writes some rows of a resource; the others show what they showed before. All that is compared is
    // remembered, also words that no row shows: what a simulator keeps there mustn't differ for ever.
    template<typename Reader>
    [[gnu::noinline]] void writeRows(LineStream& stream, bool* firstChange, unsigned int resource,
                                     std::uint32_t rows, const Reader& reader) {
        const State& polled = m_polled[resource];
        const Row* const table = m_rows.data();
        const Identifier* const identifiers = &m_identifiers[resource * m_rows.size()];
        const auto read = reader(polled);
        for (; rows != 0; rows &= rows - 1) {
            const auto i = static_cast<std::size_t>(std::countr_zero(rows));
            const Row& row = table[i];
            const SignalValue signal = read(row);
            printCycles(stream, firstChange);
            output(stream, signal.width, signal.value, identifiers[i]);
        }
        std::memcpy(&m_written[resource], comparedBytes(&polled), sizeof(Written));
    }

    const char* m_letterPrefix; // what the tracer's identifiers begin with
    std::span<const Row> m_rows;
    unsigned int m_count;                          // of resources; fixed for the whole run
    std::vector<State> m_polled;                   // the states of this clock
    std::vector<Written> m_written;                // what was last written
    std::vector<Identifier> m_identifiers;         // by resource, then by row
    std::uint32_t m_shownWords = 0;                // one bit a word, from Begin on
    Written m_shownBits = {};                      // the same, all bits of each word
    bool m_hiddenWordsChange = false;              // whether a word that no row shows was ever seen to change
    std::array<std::uint8_t, 32> m_rowOfWord = {}; // for shown words
};
