// Precompiled for the tests: the libraries' own headers change too often to stand here.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <map>
#include <memory>
#include <string>
#include <vector>
