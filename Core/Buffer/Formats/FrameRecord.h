// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/Formats/Json.h"
#include "Core/Buffer/I_Buffer.h"

#include <array>
#include <map>
#include <vector>

namespace BufferApi::Formats
{

/// What a buffer of images has beside its pixels: name, attributes, and the scales and attributes of its
/// frames. Formats that have no place for it carry it as a text of ASCII characters:
///
/// {"version":1,"frames":[{"depth":3,"scales":[0,1,2,3],"attributes":{…}},…],"scales":[[factor,offset,"unit",
/// "description"],…],"name":"…","attributes":{…}}
///
/// with the depth where it is not 1, and the scales of a frame in the order X, Y, Z, I. Attributes are those
/// of AttributeJson.h.
class FrameRecordWriter
{
public:
    FrameRecordWriter();

    void add(const I_Frame& frame);
    /// The whole text. \param buffer its name and attributes are taken
    [[nodiscard]] QByteArray finish(const I_Buffer& buffer);

private:
    [[nodiscard]] unsigned int indexOf(const Zt::LinearScale& scale);

    JsonWriter m_json;
    /// Each different scale once.
    std::vector<QByteArray> m_scales;
    std::map<QByteArray, unsigned int> m_indices;
};

class FrameRecord
{
public:
    /// \param path of the file that holds the text, for errors \throws RTE::ParseError
    FrameRecord(QByteArray text, const QString& path);
    FrameRecord(const FrameRecord&) = delete;
    FrameRecord& operator=(const FrameRecord&) = delete;

    [[nodiscard]] std::size_t frameCount() const noexcept { return m_frames.size(); }
    /// Planes of all frames.
    [[nodiscard]] unsigned long long planeCount() const noexcept { return m_planeCount; }
    /// The place of a frame's planes among those of all frames, which follow one another.
    [[nodiscard]] unsigned long long firstPlane(std::size_t index) const
    {
        return m_frames.at(index).firstPlane;
    }
    [[nodiscard]] unsigned int depth(std::size_t index) const { return m_frames.at(index).depth; }
    /// \throws RTE::ParseError for attributes that are damaged
    void applyTo(I_Buffer& buffer) const;
    /// \param index below `frameCount`
    void applyTo(I_Frame& frame, std::size_t index) const;

private:
    struct Frame
    {
        std::array<unsigned int, 4> scales{};
        std::string_view attributes;
        unsigned int depth = 1;
        unsigned long long firstPlane = 0;
    };

    [[nodiscard]] Frame readFrame(JsonReader& json) const;
    void readKey(JsonReader& json, const QString& key);
    void checkScales(const JsonReader& json) const;

    QByteArray m_text;
    QString m_source;
    QString m_name;
    std::string_view m_attributes;
    std::vector<Frame> m_frames;
    unsigned long long m_planeCount = 0;
    std::vector<Zt::LinearScale> m_scales;
};

} // namespace BufferApi::Formats
