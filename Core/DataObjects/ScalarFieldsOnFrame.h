// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/ScalarFields.h"

#include <string>

namespace BufferApi
{
class I_Component;
class I_Frame;
} // namespace BufferApi

namespace DataObjects::Private
{

/// The scalar fields of one plane of a frame, written through: fields that are added, changed and removed
/// are so in the frame, which must outlive the collection and stay unchanged by others. The map mirrors the
/// typed scalars of the frame; Rename alone changes the map only.
///
/// Pixels are views of the frame's planes, which are read from the file now if nobody asked for them before.
/// The fields that Get and operator[] return follow the frame; iterators raise when it was changed by others.
/// A removed field takes the memory along, for those who hold it. The planes of a frame share their typed
/// scalars: one that is added for a plane has zeros in the others, and none can be removed or replaced by
/// one of another type while there is more than one plane. Signs of a name beyond Latin-1 become "?".
///
/// Copying this into a plain collection gives deep copies; assigning overwrites fields in place.
class DATAOBJECTS_DATAOBJECTS_EXPORT ScalarFieldsOnFrame final : public ScalarFields
{
public:
    /// \throws RTE::VerificationFailed "Invalid plane index z" with the number when there are typed scalars
    /// but no such plane, "Source scalar field has wrong size." for a plane, out of a file, of another
    /// size than the frame, "data-pointer is null" when its memory was given up \throws RTE::Exception "RGB
    /// scalar field is not supported.", "Scalar field has unsupported data type"
    ScalarFieldsOnFrame(BufferApi::I_Frame& frame, unsigned int plane);
    ScalarFieldsOnFrame(const ScalarFieldsOnFrame&) = delete;
    ~ScalarFieldsOnFrame() override;

    /// Removes what `source` lacks, overwrites pixels and scales of what both have, adds the rest; nothing
    /// on itself. All checks come first: when they raise, the frame is as it was.
    /// \throws RTE::VerificationFailed "Source's frame size must be identical to target's frame size."
    /// \throws RTE::VerificationFailed "Assignment not possible: Removing scalar fields of multi-plane-frames
    /// is not supported." \throws RTE::VerificationFailed "bad scalar field cast" when types differ,
    /// "data-pointer is null" when a field of `source` gave its pixels up \throws RTE::Exception "Unsupported
    /// scalar field type"
    ScalarFields& operator=(const ScalarFields& source) override;
    ScalarFieldsOnFrame& operator=(const ScalarFieldsOnFrame& source);
    using ScalarFields::operator=;

    /// \name Queries
    /// \{
    [[nodiscard]] unsigned int size() const override;
    [[nodiscard]] bool empty() const override;
    [[nodiscard]] std::shared_ptr<ScalarFieldVariant> operator[](const QString& name) override;
    [[nodiscard]] std::shared_ptr<const ScalarFieldVariant> operator[](const QString& name) const override;
    /// \throws RTE::VerificationFailed "Inconsistent scalar fields beween DataObjects and I_Frame." when the
    /// frame has other names than the map; so do end and the forms that are not const
    /// A field whose component was replaced by another view raises it too here, and is looked up anew by the
    /// form that is not const.
    [[nodiscard]] ScalarFieldMap::const_iterator begin() const override;
    [[nodiscard]] ScalarFieldMap::iterator begin() override;
    [[nodiscard]] ScalarFieldMap::const_iterator end() const override;
    [[nodiscard]] ScalarFieldMap::iterator end() override;
    /// Width and height of the frame.
    [[nodiscard]] Math::Size2T<unsigned int> GetSizeOfScalarFields() const override;
    [[nodiscard]] unsigned int GetCount() const override;
    [[nodiscard]] bool Contains(const QString& name) const override;
    /// The same object as long as the frame's plane and its memory are the same.
    [[nodiscard]] std::shared_ptr<ScalarFieldVariant> Get(const QString& name) override;
    [[nodiscard]] std::shared_ptr<const ScalarFieldVariant> Get(const QString& name) const override;
    /// In the order of the frame's components.
    [[nodiscard]] QList<QString> GetNames() const override;
    [[nodiscard]] ScalarFieldMap GetMapping() const override;
    /// \}

    /// \name Change
    /// A field that has the name is overwritten in place, and `field` is copied in all forms.
    /// \{
    std::shared_ptr<ScalarFieldVariant> Add(const QString& name, ScalarFieldVariant&& field) override;
    /// \throws RTE::VerificationFailed "ScalarFieldsOnFrame::Add does not allow transfer of ownership."
    /// unless `data` is null
    std::shared_ptr<ScalarFieldVariant> Add(BufferApi::E_DataType type, const QString& name,
                                            void* data) override;
    std::shared_ptr<ScalarFieldVariant> Add(const QString& name,
                                            std::unique_ptr<ScalarFieldVariant> field) override;
    /// \throws RTE::VerificationFailed "Source scalar field has wrong size.", "Empty scalar field names are
    /// not allowed.", "bad scalar field cast" when the name belongs to a field of another type
    std::shared_ptr<ScalarFieldVariant> Add(const QString& name, const ScalarFieldVariant& field) override;
    std::shared_ptr<ScalarFieldVariant> Add(const QString& name, float value) override;
    std::shared_ptr<ScalarFieldVariant> Add(const QString& name) override;
    void Set(const QString& name, const ScalarFieldVariant& field) override;
    /// \throws RTE::VerificationFailed "Removing scalar fields of multi-plane-frames is not supported."
    /// unless the frame has one plane, whether it has the field or not
    void Remove(const QString& name) override;
    /// \throws RTE::VerificationFailed "Clearing scalar fields of multi-plane-frames is not supported."
    /// unless the frame has one plane
    void Clear() override;
    /// \}

private:
    [[nodiscard]] std::shared_ptr<ScalarFieldVariant> find(const QString& name) const;
    [[nodiscard]] std::shared_ptr<ScalarFieldVariant> known(const QString& name,
                                                            BufferApi::I_Component& component) const;
    std::shared_ptr<ScalarFieldVariant> findAndEnter(const QString& name);
    std::shared_ptr<ScalarFieldVariant> addZeros(BufferApi::E_DataType type, const QString& name);
    [[nodiscard]] QList<QString> namesLackedBy(const ScalarFields& source) const;
    void verifyAssignable(const ScalarFields& source) const;
    [[nodiscard]] bool hasOnePlane() const;
    void leavePixelsToHolders(const QString& name, BufferApi::I_Component& component);
    void ThrowOnIntegrityCheckFailure() const;

    BufferApi::I_Frame* m_frame;
    unsigned int m_plane;
};

} // namespace DataObjects::Private
