#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

// A growing sequence whose elements never move: pointers to them stay valid, and the index of an element
// is found from its address without an index of addresses.
template<class T>
class StableVector {
public:
    std::size_t size() const { return m_size; }

    T& operator[](std::size_t i) { return m_chunks[i / s_chunkSize][i % s_chunkSize]; }
    const T& operator[](std::size_t i) const { return m_chunks[i / s_chunkSize][i % s_chunkSize]; }

    template<class... Arguments>
    T& emplace_back(Arguments&&... arguments) {
        if (m_size % s_chunkSize == 0)
            m_chunks.emplace_back().reserve(s_chunkSize);
        T& element = m_chunks.back().emplace_back(std::forward<Arguments>(arguments)...);
        ++m_size;
        return element;
    }

    // Nothing for an address that is none of an element of this sequence.
    std::optional<std::size_t> indexOf(const T* element) const {
        for (std::size_t i = 0; i < m_chunks.size(); ++i) {
            const T* begin = m_chunks[i].data();
            const T* end = begin + m_chunks[i].size();
            if (!std::less<>()(element, begin) && std::less<>()(element, end))
                return i * s_chunkSize + static_cast<std::size_t>(element - begin);
        }
        return std::nullopt;
    }

private:
    static constexpr std::size_t s_chunkSize = 1024;

    std::vector<std::vector<T>> m_chunks; // each reserved whole, so that none grows
    std::size_t m_size = 0;
};
