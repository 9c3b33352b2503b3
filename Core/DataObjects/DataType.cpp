// SPDX-License-Identifier: Apache-2.0
#include "Core/DataObjects/DataType.h"

#include "Core/DataObjects/Export.h"
