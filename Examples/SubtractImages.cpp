// SPDX-License-Identifier: Apache-2.0
/// \file
/// Writes the difference of the first two frames of a file into difference.tif: SubtractImages [FILE]
#include "Core/DataObjects/DataObjects.h"

#include <algorithm>
#include <cstdio>
#include <functional>

namespace
{

void subtract(const QString& path)
{
    const auto first = DataObjects::ImportImageT<float>(path, 0, 0);
    auto difference = DataObjects::ImportImageT<float>(path, 1, 0);
    std::ranges::transform(difference, first, difference.begin(), std::minus<float>());
    difference.GetAttributes().set("Comment", "second pulse minus first");
    DataObjects::ExportImage(difference, "difference.tif");
}

} // namespace

int main(int argc, char** argv)
{
    try {
        subtract(QString::fromLocal8Bit(argc > 1 ? argv[1] : "run.qfi"));
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
