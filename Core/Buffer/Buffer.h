// SPDX-License-Identifier: Apache-2.0
/// \file
/// Everything public of Core/Buffer.
#pragma once

#include "Core/Buffer/Attributes.h"
#include "Core/Buffer/BufferApi.h"
#include "Core/Buffer/C_BufferAttributes.h"
#include "Core/Buffer/C_FrameAttributes.h"
#include "Core/Buffer/C_TypedScalarFrame.h"
#include "Core/Buffer/DataType.h"
#include "Core/Buffer/FrameStream.h"
#include "Core/Buffer/I_Attribute.h"
#include "Core/Buffer/I_Buffer.h"
#include "Core/Buffer/I_Component.h"
#include "Core/Buffer/I_Frame.h"
#include "Core/Buffer/I_FrameImage.h"
#include "Core/Buffer/I_FrameVector.h"
#include "Core/Buffer/I_Plane.h"
#include "Core/Buffer/ImportExport.h"
#include "Core/Buffer/KnownFormats.h"
#include "Core/Buffer/NameText.h"
