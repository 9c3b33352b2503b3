// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/Formats/NativeColumns.h"
#include "Core/Buffer/Formats/NativeLayout.h"
#include "Core/Buffer/Formats/NativePlanes.h"

#include <deque>
#include <map>
#include <string>
#include <vector>

namespace BufferApi::Formats::Native
{

/// What a set takes of its first frame. The frame may be anybody's and wait for other threads, so it is asked
/// without the lock of HDF5.
struct FirstFrame
{
    FirstFrame(const I_Frame& frame, FrameStructure structure);

    FrameStructure structure;
    FrameScales scales;
    /// Names of attributes that are numbers.
    std::vector<std::string> numbers;
};

/// Writes one set: frames of one structure, each a row of every dataset.
class SetWriter
{
public:
    /// Lays out the set by its first frame, which is not yet appended. \param coder outlives the set
    SetWriter(Hdf5::Group group, FirstFrame first, bool isPacked, ChunkCoder& coder);

    [[nodiscard]] const FrameStructure& structure() const noexcept { return m_structure; }
    /// \param index the frame's place in the buffer
    void append(const I_Frame& frame, unsigned long long index);
    /// Writes what waits; `frame` last, since a reader takes a frame for whole once it stands there.
    void flush();

private:
    /// Where each frame's text ends in a column of bytes.
    struct TextColumn
    {
        TextColumn(Hdf5::Group& group, const char* textName, const char* byteName, const char* endName,
                   ChunkCoder& coder);
        void append(const QByteArray& utf8);
        void flush();

        ColumnWriter text;
        ColumnWriter end;
        Hdf5::Dataset byte;
    };
    /// A copy of a numeric frame attribute for other programs.
    struct Mirror
    {
        std::string attribute;
        ColumnWriter column;
    };
    struct PlannedDataset
    {
        DatasetPlan plan;
        PlaneWriter planes;
        bool isScaleHidden = false;
    };
    struct Axis
    {
        Hdf5::Dataset dataset;
        bool isScaleHidden = false;
    };

    void describeGroup(const std::vector<DatasetPlan>& plans);
    [[nodiscard]] const std::string& nameOf(unsigned int component) const;
    void createAxes();
    /// \returns the dataset's dimensions, which are to be attached
    [[nodiscard]] Hdf5::DatasetScales createDataset(DatasetPlan plan);
    [[nodiscard]] std::vector<const Hdf5::Dataset*> dimensionsOf(const PlannedDataset& dataset);
    /// A dimension that counts from 0, made at first use.
    [[nodiscard]] Hdf5::Dataset& indexScale(const std::string& name, unsigned int count);
    void describeDataset(PlannedDataset& dataset);
    void writeRelations(Hdf5::Dataset& dataset);
    void createMirrors(const std::vector<std::string>& numbers);
    void appendScales(const FrameScales& scales);
    void hideChangedScales(const FrameScales& scales);
    static void hide(Hdf5::Dataset& dataset, bool& isHidden);

    Hdf5::Group m_group;
    ChunkCoder& m_coder;
    bool m_isPacked;
    FrameStructure m_structure;
    FrameScales m_usual;
    unsigned long long m_rows = 0;
    ColumnWriter m_frame;
    TextColumn m_attributes;
    std::optional<TextColumn> m_scales;
    std::deque<Axis> m_axes;
    std::map<std::string, Hdf5::Dataset> m_indexScales;
    std::set<std::string> m_taken;
    std::deque<PlannedDataset> m_datasets;
    std::deque<Mirror> m_mirrors;
};

} // namespace BufferApi::Formats::Native
