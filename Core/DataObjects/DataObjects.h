// SPDX-License-Identifier: Apache-2.0
/// \file
/// Everything public of Core/DataObjects.
#pragma once

#include "Core/DataObjects/DataType.h"
#include "Core/DataObjects/FloatFrame.h"
#include "Core/DataObjects/FrameData.h"
