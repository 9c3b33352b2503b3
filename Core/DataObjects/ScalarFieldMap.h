// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Core/DataObjects/ScalarFieldVariant.h"

#include <QString>

#include <map>
#include <memory>

namespace DataObjects
{

/// Scalar fields by name, in the case-sensitive order of `QString`; entries come in through operator[], which
/// refuses the empty name. A copy shares the fields.
class DATAOBJECTS_DATAOBJECTS_EXPORT ScalarFieldMap
    : public std::map<QString, std::shared_ptr<ScalarFieldVariant>>
{
public:
    /// The field of that name; a null one is entered when there is none.
    /// \throws RTE::VerificationFailed "Empty scalar field names are not allowed."
    std::shared_ptr<ScalarFieldVariant>& operator[](const QString& name);
    /// Raises for the name that operator[] refuses, and does nothing for others.
    static void verifyName(const QString& name);
};

} // namespace DataObjects
