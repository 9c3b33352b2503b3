// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/BufferApi.h"

#include <QCryptographicHash>
#include <QString>

#include <map>
#include <vector>

namespace Qf
{

/// An attribute as shown: a text, or the numbers of a plane.
struct AttributeSummary
{
    bool isText = true;
    QString text;
    std::vector<double> numbers;

    friend bool operator==(const AttributeSummary&, const AttributeSummary&) = default;
};

using AttributeSummaries = std::map<std::string, AttributeSummary>;

/// A component without its data.
struct ComponentSummary
{
    QString name;
    BufferApi::E_DataType type = BufferApi::DT_UNKNOWN;
    unsigned int planes = 0;
    Zt::LinearScale scale{Zt::ScalePreset::I};

    friend bool operator==(const ComponentSummary&, const ComponentSummary&) = default;
};

/// Everything of a frame that frames of one recording have in common.
struct FrameStructure
{
    /// "image", "mosaic" or "vector".
    QString kind;
    BufferApi::E_DataType type = BufferApi::DT_UNKNOWN;
    unsigned int width = 0;
    unsigned int height = 0;
    unsigned int depth = 0;
    /// 0 for frames that hold no vectors.
    unsigned int choices = 0;
    std::vector<unsigned int> grid;
    /// x, y, z, I.
    std::vector<Zt::LinearScale> scales;
    std::vector<ComponentSummary> components;

    friend bool operator==(const FrameStructure&, const FrameStructure&) = default;
};

/// Frames that follow one another and agree in everything but pixels and attributes.
struct FrameRun
{
    FrameStructure structure;
    /// Their numbers in the file.
    std::vector<unsigned int> numbers;
    /// One entry for each frame.
    std::vector<AttributeSummaries> attributes;
};

/// What a buffer holds, without reading a pixel.
struct BufferSummary
{
    QString name;
    /// Of the file.
    unsigned int frameCount = 0;
    AttributeSummaries attributes;
    std::vector<FrameRun> runs;
};

/// \param numbers of the frames to look into
[[nodiscard]] BufferSummary summarize(const BufferApi::I_Buffer& buffer,
                                      const std::vector<unsigned int>& numbers);

/// Values of one component of one frame, in the unit of its scale; of RGB all channels together.
struct Statistics
{
    unsigned int frame = 0;
    QString component;
    QString unit;
    /// Numbers that are finite; the others are only counted.
    unsigned long long count = 0;
    unsigned long long notFinite = 0;
    /// NaN without finite values, as the others.
    double minimum = 0.0;
    double maximum = 0.0;
    double mean = 0.0;
    double deviation = 0.0;
};

/// One entry for each component of a frame; reads every plane.
[[nodiscard]] std::vector<Statistics> statistics(unsigned int number, const BufferApi::I_Frame& frame);

/// SHA-256 over the bytes of all planes in the order frame, component, z; of a recording of one plane per
/// frame the hash of its frames one after the other. Of RGB the bytes red, green, blue.
class PlanesHash
{
public:
    void add(const BufferApi::I_Frame& frame);
    /// In hexadecimal digits.
    [[nodiscard]] QString text() const;

private:
    QCryptographicHash m_hash{QCryptographicHash::Sha256};
};

/// "uint16", as NumPy and MATLAB name it.
[[nodiscard]] QString typeName(BufferApi::E_DataType type);

} // namespace Qf
