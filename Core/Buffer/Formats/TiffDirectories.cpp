// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/TiffDirectories.h"

#include <QtEndian>

#include <tiff.h>

#include <algorithm>
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
        return offset(endOfEntries(directory));
    }

    /// libtiff passes over a text that the file ends before; ours has all scales and attributes in it.
    void checkDescription(unsigned long long directory) const
    {
        const unsigned int inPlace = m_isBig ? 8 : 4;
        const unsigned long long end = endOfEntries(directory);
        for (auto entry = firstEntry(directory); entry < end; entry += entryBytes()) {
            const unsigned long long bytes = offset(entry + 4);
            const bool isElsewhere = number<quint16>(entry) == TIFFTAG_IMAGEDESCRIPTION && bytes > inPlace;
            if (isElsewhere && m_file.size() - std::min(m_file.size(), offset(entry + 4 + inPlace)) < bytes) {
                m_file.refuse(QStringLiteral("the file ends within its description"));
            }
        }
    }

    /// By the tag NewSubfileType, which stands first if it is there.
    [[nodiscard]] bool isCopyOrMask(unsigned long long directory) const
    {
        const unsigned long long entry = firstEntry(directory);
        return number<quint16>(entry) == TIFFTAG_SUBFILETYPE &&
               (number<quint32>(entry + (m_isBig ? 12 : 8)) & (FILETYPE_REDUCEDIMAGE | FILETYPE_MASK)) != 0;
    }

private:
    [[nodiscard]] unsigned int entryBytes() const { return m_isBig ? 20 : 12; }
    [[nodiscard]] unsigned long long firstEntry(unsigned long long directory) const
    {
        return directory + (m_isBig ? 8 : 2);
    }
    [[nodiscard]] unsigned long long endOfEntries(unsigned long long directory) const
    {
        const unsigned long long count = m_isBig ? number<quint64>(directory) : number<quint16>(directory);
        if (count > m_file.size() / entryBytes()) {
            refuseEnd();
        }
        return firstEntry(directory) + count * entryBytes();
    }

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
    chain.checkDescription(directories.front());
    return directories;
}

} // namespace BufferApi::Formats
