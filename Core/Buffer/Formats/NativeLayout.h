// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/Formats/Hdf5.h"
#include "Core/Buffer/FrameBuilder.h"
#include "Core/Common/LinearScale.h"

#include <array>
#include <cmath>
#include <optional>
#include <set>
#include <string>
#include <vector>

/// What the native file is made of, see docs/FileFormat.md: the names in it, and how a frame is laid out.
namespace BufferApi::Formats::Native
{

inline constexpr char formatName[] = "qf-frames";
inline constexpr int formatMajor = 1;
inline constexpr int formatMinor = 0;

namespace Name
{
inline constexpr char frame[] = "frame";
inline constexpr char frameAttributes[] = "frame_attributes";
inline constexpr char frameAttributesEnd[] = "frame_attributes_end";
inline constexpr char attributeByte[] = "attribute_byte";
inline constexpr char frameScales[] = "frame_scales";
inline constexpr char frameScalesEnd[] = "frame_scales_end";
inline constexpr char scaleByte[] = "scale_byte";
inline constexpr char bufferAttributes[] = "buffer_attributes";
inline constexpr char bufferAttributeByte[] = "buffer_attribute_byte";
inline constexpr char choice[] = "choice";
inline constexpr char channel[] = "channel";
inline constexpr char axes[3][2] = {"x", "y", "z"};
} // namespace Name

/// A scale by its values; compares bit for bit.
struct ScaleValue
{
    double factor = 1;
    double offset = 0;
    QString unit;
    QString description;

    ScaleValue() = default;
    explicit ScaleValue(const Zt::LinearScale& scale);

    [[nodiscard]] Zt::LinearScale scale() const { return {factor, offset, unit, description}; }
    /// Values pass unchanged, and nothing is lost when factor and offset are left out.
    [[nodiscard]] bool isPlain() const noexcept
    {
        return factor == 1 && offset == 0 && !std::signbit(offset);
    }
    friend bool operator==(const ScaleValue& a, const ScaleValue& b);
};

/// Everything of a component but its pixels and scale.
struct ComponentStructure
{
    std::string name;
    E_DataType type = DT_UNKNOWN;
    unsigned int width = 0;
    unsigned int height = 0;
    /// Of packed colour: 3, or 4 where the reserved byte carries something; else 1.
    unsigned int channels = 1;

    friend bool operator==(const ComponentStructure&, const ComponentStructure&) = default;
};

/// Everything of a frame but its pixels, scales and attributes. Frames of one structure form a set.
struct FrameStructure
{
    FrameShape shape;
    std::array<unsigned int, 3> grid{1, 1, 1};
    std::vector<ComponentStructure> components;

    friend bool operator==(const FrameStructure&, const FrameStructure&) = default;
};

/// Reads the pixels of colour frames, to see what their reserved bytes carry.
[[nodiscard]] FrameStructure structureOf(const I_Frame& frame);

/// All scales of a frame.
struct FrameScales
{
    std::array<ScaleValue, 3> axes;
    ScaleValue intensity;
    /// By index of the component; nothing where it has no scale of its own.
    std::vector<std::optional<ScaleValue>> components;

    friend bool operator==(const FrameScales&, const FrameScales&) = default;
};

[[nodiscard]] FrameScales scalesOf(const I_Frame& frame);

/// A dataset of a set: one component, or the choices of a vector component stacked.
struct DatasetPlan
{
    std::string name;
    std::string role;
    /// Indices of the components, in the order of choices.
    std::vector<unsigned int> components;
};

[[nodiscard]] std::vector<DatasetPlan> planDatasets(const FrameStructure& structure);

/// True for the component whose scale is the frame's I scale unless it has its own.
[[nodiscard]] bool followsIntensity(const FrameShape& shape, const std::string& component);

[[nodiscard]] QByteArray kindText(FrameKind kind);
[[nodiscard]] std::optional<FrameKind> kindFromText(const QByteArray& text);

/// A name that HDF5 and netCDF take for a dataset: `%`, `/`, control characters and the like are
/// percent-encoded, reserved names get the prefix "qf_user_". Different from all in `taken`, and added to it.
[[nodiscard]] std::string datasetName(const std::string& name, std::set<std::string>& taken);

/// The name of a buffer attribute in the file, and back. \returns nothing for a name that is too long for
/// netCDF
[[nodiscard]] std::optional<std::string> attributeName(const std::string& name);
/// \returns nothing for the names of the format and of netCDF themselves
[[nodiscard]] std::optional<std::string> attributeNameFromFile(const std::string& name);

[[nodiscard]] QByteArray scaleToJson(const ScaleValue& scale);
[[nodiscard]] ScaleValue scaleFromJson(const QByteArray& text, const QString& source);

/// Scales of a frame where they differ from `usual`, as JSON; empty when none does.
[[nodiscard]] QByteArray scalesToJson(const FrameScales& scales, const FrameScales& usual,
                                      const FrameStructure& structure);
/// Changes `scales` by such a text.
void scalesFromJson(std::string_view text, const QString& source, const FrameStructure& structure,
                    FrameScales& scales);

} // namespace BufferApi::Formats::Native
