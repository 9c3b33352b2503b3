// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/Buffer/I_Buffer.h"
#include "Core/DataObjects/Attributes.h"

namespace DataObjects
{

/// A live view on the attributes of a buffer or a frame of the store, which must outlive it: a write lands
/// there at once.
///
/// The store keeps a text or number as text, so that a number comes back as text, which reads as the same
/// number. A list becomes a plane of height 1 and keeps its kind. A name keeps being text or list until it is
/// removed or merged into, and a list keeps its element type: writing anything else raises RTE::Exception or
/// RTE::VerificationFailed. Other kinds of the store read as null and refuse to be written.
///
/// Every call with an empty name raises RTE::InvalidArgumentError.
class DATAOBJECTS_DATAOBJECTS_EXPORT BufferAttributes final : public Attributes
{
public:
    explicit BufferAttributes(BufferApi::I_Buffer& buffer);
    explicit BufferAttributes(BufferApi::I_Frame& frame);
    /// A second view of the same target.
    BufferAttributes(const BufferAttributes& other);
    /// Replaces what stands in the present target by copies of the other's attributes, and then becomes a
    /// view of the other's target.
    BufferAttributes& operator=(const BufferAttributes& other);
    ~BufferAttributes() override;

    void setAttribute(const Attribute& attribute) override;
    [[nodiscard]] AttributeValue attributeValue(const std::string& name) const override;
    [[nodiscard]] Attribute attribute(const std::string& name) const override;
    /// A "*" counts at the end of the name only.
    void remove(const std::string& name) override;
    [[nodiscard]] bool contains(const std::string& name) const override;
    void clear() override;
    /// A second view of the same target.
    [[nodiscard]] std::unique_ptr<Attributes> clone() const override;
    [[nodiscard]] bool isEmpty() const override;
    [[nodiscard]] std::vector<Attribute> toStdVector() const override;

protected:
    void setAV(const std::string& name, const AttributeValue& value) override;
    void replaceAV(const std::string& name, const AttributeValue& value) override;

private:
    [[nodiscard]] const BufferApi::AttributeMap& map() const;
    [[nodiscard]] BufferApi::I_AttributeBase* FindAttribute(const std::string& name) const;
    BufferApi::I_AttributeBase& CreateAttribute(const std::string& name, AttributeValue::Type type);
    static void AssignAttribute(BufferApi::I_AttributeBase& attribute, const AttributeValue& value);
    static void AssignList(BufferApi::I_AttributePlane& attribute, const AttributeValue& value);
    static BufferApi::I_PlaneBase& CreatePlane(BufferApi::I_AttributePlane& attribute,
                                               BufferApi::E_DataType type, unsigned long long count);

    BufferApi::I_Buffer* m_buffer = nullptr;
    BufferApi::I_Frame* m_frame = nullptr;
};

} // namespace DataObjects
