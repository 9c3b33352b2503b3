// SPDX-License-Identifier: Apache-2.0
/// \file
/// Everything public of Core/DataObjects.
#pragma once

#include "Core/DataObjects/AttributeValue.h"
#include "Core/DataObjects/DataType.h"
#include "Core/DataObjects/FloatFrame.h"
#include "Core/DataObjects/FrameData.h"
#include "Core/DataObjects/ImageData.h"
#include "Core/DataObjects/ImageDataVariant.h"
#include "Core/DataObjects/InstantMask.h"
#include "Core/DataObjects/LazyMask.h"
#include "Core/DataObjects/Mask.h"
#include "Core/DataObjects/MaskFromBuffer.h"
#include "Core/DataObjects/MaskStrategy.h"
#include "Core/DataObjects/MaskVolume.h"
#include "Core/DataObjects/MaskVolumeList.h"
