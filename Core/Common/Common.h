// SPDX-License-Identifier: Apache-2.0
/// \file
/// Everything public of Core/Common.
#pragma once

#include "Core/Common/Array.h"
#include "Core/Common/AttributeNames.h"
#include "Core/Common/BoundingBox.h"
#include "Core/Common/Constrained.h"
#include "Core/Common/Euclidean.h"
#include "Core/Common/Exception.h"
#include "Core/Common/LinearScale.h"
#include "Core/Common/MemoryBlock.h"
#include "Core/Common/PixelTypes.h"
#include "Core/Common/Point.h"
#include "Core/Common/RGBQuadParameter.h"
#include "Core/Common/Raise.h"
#include "Core/Common/Size.h"
#include "Core/Common/SourceLocation.h"
#include "Core/Common/Span.h"
#include "Core/Common/TargetClones.h"
#include "Core/Common/Unicode.h"
#include "Core/Common/Vector.h"
