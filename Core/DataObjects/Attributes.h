// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/Attribute.h"

#include <concepts>
#include <memory>
#include <string>
#include <vector>

namespace DataObjects
{

/// The native types that an attribute's value is made of, and AttributeValue itself.
template <typename T>
concept AttributeWritable = std::convertible_to<const T&, AttributeValue>;

/// What a merge does with names that the target has.
enum class AttributesMerge
{
    Replace,
    KeepExisting
};

/// The named attributes of a data object: AttributesContainer holds them in memory, BufferAttributes is a
/// view on those of the frame store.
///
/// A dot in a name separates a group from its members. Removing a name removes its group: "Acq" takes
/// "Acq.Time" along, though not "AcqTime". Setting a name leaves its group alone.
///
/// \code
/// AttributesContainer attributes;
/// attributes.set("Acq.Gain", 2.5);
/// attributes.set(Attr::cameraName, QStringLiteral("Camera 1"));
/// attributes.attributeValue("Acq.Gain").value<double>();  // 2.5
/// attributes.remove("Acq");
/// attributes.contains("Acq.Gain");                        // false
/// \endcode
class DATAOBJECTS_DATAOBJECTS_EXPORT Attributes
{
public:
    virtual ~Attributes();

    /// As `set` of its name and value.
    virtual void setAttribute(const Attribute& attribute) = 0;
    /// A copy of the value; null if the name is absent.
    /// \throws RTE::InvalidArgumentError "Empty name."
    [[nodiscard]] virtual AttributeValue attributeValue(const std::string& name) const = 0;
    /// The name with its value; with a null value if it is absent.
    /// \throws RTE::InvalidArgumentError "Empty name."
    [[nodiscard]] virtual Attribute attribute(const std::string& name) const = 0;
    /// Removes the name and all that begins with it and a dot. With a "*" in the name: all that begins with
    /// the text before it.
    virtual void remove(const std::string& name) = 0;
    [[nodiscard]] virtual bool contains(const std::string& name) const = 0;
    virtual void clear() = 0;
    [[nodiscard]] virtual std::unique_ptr<Attributes> clone() const = 0;
    [[nodiscard]] virtual bool isEmpty() const = 0;
    /// Copies of all attributes, sorted by the bytes of their names.
    [[nodiscard]] virtual std::vector<Attribute> toStdVector() const = 0;

    /// Sets the value under this name. A null value removes the name, with its group.
    template <AttributeWritable T>
    void set(const std::string& name, const T& value)
    {
        setAV(name, value);
    }

    /// Sets each attribute of the source under exactly its name, in place of whatever stands there; the
    /// target's other names stay, those of the same group too.
    void merge(const Attributes& source, AttributesMerge mode = AttributesMerge::Replace);

protected:
    Attributes() = default;
    Attributes(const Attributes&) = default;
    Attributes(Attributes&&) = default;
    Attributes& operator=(const Attributes&) = default;
    Attributes& operator=(Attributes&&) = default;

    virtual void setAV(const std::string& name, const AttributeValue& value) = 0;
    /// As setAV, for a value that is not null, where what stands under the name does not restrict the kind.
    virtual void replaceAV(const std::string& name, const AttributeValue& value);
};

/// True when a vector field has uncertainty ellipses: "CellSizeOrientation" is there and reads as 10.
[[nodiscard]] DATAOBJECTS_DATAOBJECTS_EXPORT bool hasEllipseData(const Attributes& attributes);

} // namespace DataObjects
