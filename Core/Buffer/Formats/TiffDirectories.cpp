// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/TiffDirectories.h"

#include <QtEndian>

#include <tiff.h>

#include <unordered_set>

namespace BufferApi::Formats
{

namespace
{

class DirectoryChain
{
public:
    explicit DirectoryChain(const InputFile& file)
        : m_file(file), m_isBigEndian(file.readUpTo(0, 2) == "MM"), m_isBig(number<quint16>(2) == 43)
    {
    }

    /// The first directory; 0 when there is none.
    [[nodiscard]] unsigned long long first() const { return m_isBig ? offset(8) : offset(4); }

    [[nodiscard]] unsigned long long next(unsigned long long directory) const
    {
        const unsigned int countBytes = m_isBig ? 8 : 2;
        const unsigned int entryBytes = m_isBig ? 20 : 12;
        const unsigned long long entries = m_isBig ? number<quint64>(directory) : number<quint16>(directory);
        if (entries > m_file.size() / entryBytes) {
            refuseEnd();
        }
        return offset(directory + countBytes + entries * entryBytes);
    }

    /// By the tag NewSubfileType, which stands first if it is there.
    [[nodiscard]] bool isCopyOrMask(unsigned long long directory) const
    {
        const unsigned long long entry = directory + (m_isBig ? 8 : 2);
        return number<quint16>(entry) == TIFFTAG_SUBFILETYPE &&
               (number<quint32>(entry + (m_isBig ? 12 : 8)) & (FILETYPE_REDUCEDIMAGE | FILETYPE_MASK)) != 0;
    }

private:
    [[nodiscard]] unsigned long long offset(unsigned long long place) const
    {
        return m_isBig ? number<quint64>(place) : number<quint32>(place);
    }

    template <typename T>
    [[nodiscard]] T number(unsigned long long place) const
    {
        if (m_file.size() < sizeof(T) || place > m_file.size() - sizeof(T)) {
            refuseEnd();
        }
        T value = 0;
        m_file.read(place, &value, sizeof(T));
        return m_isBigEndian ? qFromBigEndian(value) : qFromLittleEndian(value);
    }

    [[noreturn]] void refuseEnd() const
    {
        m_file.refuse(QStringLiteral("the file ends before its last directory"));
    }

    const InputFile& m_file;
    bool m_isBigEndian;
    bool m_isBig;
};

} // namespace

std::vector<unsigned long long> tiffDirectories(const InputFile& file)
{
    const DirectoryChain chain(file);
    std::vector<unsigned long long> directories;
    std::unordered_set<unsigned long long> seen;
    for (auto directory = chain.first(); directory != 0; directory = chain.next(directory)) {
        if (!seen.insert(directory).second) {
            file.refuse(QStringLiteral("its chain of directories has no end"));
        }
        if (!chain.isCopyOrMask(directory)) {
            directories.push_back(directory);
        }
    }
    if (directories.empty()) {
        file.refuse(QStringLiteral("it has no pages"));
    }
    return directories;
}

} // namespace BufferApi::Formats
