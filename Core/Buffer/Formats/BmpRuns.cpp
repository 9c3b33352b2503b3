// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/BmpRuns.h"

#include <cstddef>
#include <utility>

namespace BufferApi::Formats
{

namespace
{

/// What the second byte means where the first, the length of a run, is 0; from 3 on so many pixels follow.
enum Escape : unsigned char
{
    EndOfRow = 0,
    EndOfBitmap = 1,
    Jump = 2
};

class Decoder
{
public:
    Decoder(const BmpRuns& bitmap, std::span<const unsigned char> code)
        : m_bitmap(bitmap), m_code(code), m_indices(1ULL * bitmap.width * bitmap.height)
    {
    }

    bool run()
    {
        while (m_code.size() >= 2) {
            const unsigned char count = m_code[0];
            const unsigned char value = m_code[1];
            m_code = m_code.subspan(2);
            if (count == 0 && value == EndOfBitmap) {
                return true;
            }
            if (!(count == 0 ? escape(value) : repeat(count, value))) {
                return false;
            }
        }
        return false;
    }

    [[nodiscard]] std::vector<unsigned char>&& indices() noexcept { return std::move(m_indices); }

private:
    bool escape(unsigned char value)
    {
        if (value == EndOfRow) {
            m_x = 0;
            ++m_y;
            return true;
        }
        return value == Jump ? jump() : copy(value);
    }

    bool jump()
    {
        if (m_code.size() < 2) {
            return false;
        }
        m_x += m_code[0];
        m_y += m_code[1];
        m_code = m_code.subspan(2);
        return true;
    }

    /// Two values of four bits take turns.
    bool repeat(unsigned int count, unsigned char value)
    {
        for (unsigned int i = 0; i < count; ++i) {
            if (!put(m_bitmap.bits == 8 ? value : nibble(value, i))) {
                return false;
            }
        }
        return true;
    }

    /// They are filled up to a whole word.
    bool copy(unsigned int count)
    {
        const std::size_t bytes = (count * m_bitmap.bits + 15) / 16 * 2;
        if (m_code.size() < bytes) {
            return false;
        }
        for (unsigned int i = 0; i < count; ++i) {
            if (!put(m_bitmap.bits == 8 ? m_code[i] : nibble(m_code[i / 2], i))) {
                return false;
            }
        }
        m_code = m_code.subspan(bytes);
        return true;
    }

    static unsigned char nibble(unsigned char byte, unsigned int place) noexcept
    {
        return place % 2 == 0 ? byte >> 4U : byte & 0xFU;
    }

    bool put(unsigned char index)
    {
        if (m_y >= m_bitmap.height) {
            return false;
        }
        if (m_x < m_bitmap.width) {
            m_indices[m_y * m_bitmap.width + m_x] = index;
        }
        ++m_x;
        return true;
    }

    const BmpRuns& m_bitmap;
    std::span<const unsigned char> m_code;
    std::vector<unsigned char> m_indices;
    unsigned long long m_x = 0;
    unsigned long long m_y = 0;
};

} // namespace

std::vector<unsigned char> BmpRuns::decode(std::span<const unsigned char> code) const
{
    Decoder decoder(*this, code);
    return decoder.run() ? decoder.indices() : std::vector<unsigned char>();
}

} // namespace BufferApi::Formats
