// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/Formats/NativeColumns.h"
#include "Core/Buffer/Formats/NativeLayout.h"
#include "Core/Buffer/Formats/NativePlanes.h"

#include <map>

namespace BufferApi::Formats::Native
{

/// Reads one set: makes a frame of each row. Several threads may call it at once.
class SetReader
{
public:
    /// Reads the structure and checks it against what the file can hold.
    SetReader(const Hdf5::Group& group, std::shared_ptr<OpenFile> file);

    /// The place in the buffer of each row.
    [[nodiscard]] const std::vector<long long>& indices() const noexcept { return m_indices; }
    [[nodiscard]] std::unique_ptr<I_Frame> frame(unsigned long long row) const;
    /// True if all planes are under checksums.
    [[nodiscard]] bool hasChecksums() const;

private:
    /// Texts of the rows; rows beyond its end have none.
    struct TextColumn
    {
        TextColumn(const Hdf5::Group& group, const char* textName, const char* endName, OpenFile& file);
        [[nodiscard]] QByteArray at(unsigned long long row) const;
        /// For errors.
        [[nodiscard]] QString source(unsigned long long row) const { return name + QString::number(row); }

        ColumnReader text;
        ColumnReader end;
        QString name;
    };
    struct OpenDataset
    {
        /// Indices of the components, in the order of choices.
        std::vector<unsigned int> components;
        std::shared_ptr<const PlaneReader> planes;
    };
    struct Component
    {
        ComponentStructure structure;
        std::optional<ScaleValue> ownScale;
    };
    struct FoundComponents
    {
        std::map<unsigned int, Component> placed;
        std::optional<ScaleValue> intensity;
    };

    void openStructure(const Hdf5::Group& group);
    void readShape(const Hdf5::Attributes& group);
    void openDatasets(const Hdf5::Group& group, const Hdf5::Attributes& attributes);
    void openDataset(Hdf5::Dataset dataset, FoundComponents& found);
    /// Of the first dataset that follows the intensity scale it takes that.
    [[nodiscard]] static std::optional<ScaleValue> readOwnScale(const Hdf5::Attributes& dataset,
                                                                FoundComponents& found);
    void readAxes(const Hdf5::Group& group);
    void readIndices(const Hdf5::Group& group);
    [[nodiscard]] std::vector<ComponentParts> components(unsigned long long row,
                                                         const FrameScales& scales) const;

    std::shared_ptr<OpenFile> m_file;
    FrameStructure m_structure;
    FrameScales m_usual;
    std::vector<OpenDataset> m_datasets;
    std::vector<long long> m_indices;
    std::unique_ptr<TextColumn> m_attributes;
    std::unique_ptr<TextColumn> m_scales;
};

} // namespace BufferApi::Formats::Native
