// SPDX-License-Identifier: Apache-2.0
/// \file
/// What images of words and of colours have beside their pixels.
#pragma once

#include "Core/DataObjects/ScalarField.h"
#include "Core/DataObjects/ScalarFields.h"
#include "Tests/Support/Scales.h"

#include <gtest/gtest.h>

namespace TestSupport
{

/// An invalid last pixel, scales, an attribute and a scalar field.
template <typename AnyImage>
void addCompanions(AnyImage& image)
{
    image.GetMask().SetValid(image.GetWidth() - 1, image.GetHeight() - 1, false);
    image.GetScaleX().set(scaleOf(0.5, 1.0));
    image.GetScaleY().set(scaleOf(0.25, 2.0));
    image.GetScaleI().set(scaleOf(3.0, 4.0));
    image.GetAttributes().set("Number", 7);
    image.GetScalarFields().Add("Field", 1.5F);
}

/// They are those that `addCompanions` gives.
template <typename AnyImage>
void expectCompanions(const AnyImage& image)
{
    EXPECT_FALSE(image.IsMaskValid(image.GetWidth() - 1, image.GetHeight() - 1));
    EXPECT_TRUE(image.IsMaskValid(0, 0));
    EXPECT_EQ(image.GetScaleX(), scaleOf(0.5, 1.0));
    EXPECT_EQ(image.GetScaleY(), scaleOf(0.25, 2.0));
    EXPECT_EQ(image.GetScaleI(), scaleOf(3.0, 4.0));
    EXPECT_EQ(image.GetAttributes().attributeValue("Number").template value<int>(), 7);
    const auto field = image.GetScalarFields().Get("Field");
    EXPECT_EQ(DataObjects::CastScalarFieldTo<float>(*field).GetPixel(0, 0), 1.5F);
}

} // namespace TestSupport
