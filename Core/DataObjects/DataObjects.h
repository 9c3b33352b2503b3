// SPDX-License-Identifier: Apache-2.0
/// \file
/// Everything public of Core/DataObjects.
#pragma once

#include "Core/DataObjects/DataType.h"
