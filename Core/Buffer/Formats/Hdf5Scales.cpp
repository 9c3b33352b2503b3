// SPDX-License-Identifier: Apache-2.0
#include "Core/Buffer/Formats/Hdf5.h"
#include "Core/Buffer/Formats/Hdf5Call.h"

#include <algorithm>
#include <cstddef>

namespace BufferApi::Hdf5
{

namespace
{

constexpr char what[] = "scales";

/// An element of the list that a scale has of the dimensions which it is for.
struct Reference
{
    hobj_ref_t dataset = 0;
    int dimension = 0;
    /// The file takes all bytes of an element, which are to be the same ones always.
    int padding = 0;
};

struct UsedScale
{
    const Dataset* scale = nullptr;
    hobj_ref_t reference = 0;
    std::vector<Reference> uses;
};

hobj_ref_t referenceTo(const FileContext& file, const Handle& object)
{
    hobj_ref_t reference = 0;
    checked(file, what,
            [&] { return H5Rcreate(&reference, object.get(), ".", H5R_OBJECT, H5I_INVALID_HID); });
    return reference;
}

Handle referenceType(const FileContext& file)
{
    Handle type =
        checkedHandle(file, what, H5Tclose, [] { return H5Tcreate(H5T_COMPOUND, sizeof(Reference)); });
    checked(file, what, [&] {
        const hid_t id = type.get();
        return std::min(H5Tinsert(id, "dataset", offsetof(Reference, dataset), H5T_STD_REF_OBJ),
                        H5Tinsert(id, "dimension", offsetof(Reference, dimension), H5T_NATIVE_INT));
    });
    return type;
}

void writeList(const FileContext& file, const Handle& owner, const char* name, const Handle& type,
               const void* elements, hsize_t count)
{
    const Handle space =
        checkedHandle(file, what, H5Sclose, [&] { return H5Screate_simple(1, &count, nullptr); });
    const Handle attribute = checkedHandle(file, what, H5Aclose, [&] {
        return H5Acreate2(owner.get(), name, type.get(), space.get(), H5P_DEFAULT, H5P_DEFAULT);
    });
    checked(file, what, [&] { return H5Awrite(attribute.get(), type.get(), elements); });
}

void writeDimensions(const FileContext& file, const Handle& dataset, const Handle& type,
                     std::vector<hobj_ref_t>& scales)
{
    // A dimension may have several scales.
    std::vector<hvl_t> lists;
    for (hobj_ref_t& scale : scales) {
        lists.push_back({1, &scale});
    }
    writeList(file, dataset, "DIMENSION_LIST", type, lists.data(), lists.size());
}

} // namespace

void Dataset::attachScales(std::span<const DatasetScales> all)
{
    const Serial serial;
    for (Handle Object::*table : {&Dataset::m_handle, &Dataset::m_twin}) {
        if (!all.empty() && (all.front().dataset->*table).isOpen()) {
            attachScalesIn(table, all);
        }
    }
}

void Dataset::attachScalesIn(Handle Object::*table, std::span<const DatasetScales> all)
{
    const FileContext& file = all.front().dataset->file();
    const Handle listType =
        checkedHandle(file, what, H5Tclose, [] { return H5Tvlen_create(H5T_STD_REF_OBJ); });
    std::vector<UsedScale> used;
    for (const auto& [dataset, scales] : all) {
        const hobj_ref_t self = referenceTo(file, dataset->*table);
        std::vector<hobj_ref_t> references;
        for (const Dataset* scale : scales) {
            auto found = std::find_if(used.begin(), used.end(),
                                      [&](const UsedScale& other) { return other.scale == scale; });
            if (found == used.end()) {
                found = used.insert(found, {scale, referenceTo(file, scale->*table), {}});
            }
            found->uses.push_back({self, static_cast<int>(references.size()), 0});
            references.push_back(found->reference);
        }
        writeDimensions(file, dataset->*table, listType, references);
    }
    const Handle useType = referenceType(file);
    for (const UsedScale& scale : used) {
        writeList(file, scale.scale->*table, "REFERENCE_LIST", useType, scale.uses.data(), scale.uses.size());
    }
}

} // namespace BufferApi::Hdf5
