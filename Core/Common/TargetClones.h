// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Compiles a plain loop for three generations of processors; the fitting one is chosen when the library is
/// loaded.
///
/// Off where the loader runs the choice before a sanitizer is ready, and for clang 14, which does not know
/// it.
#if defined(__GNUC__) && !defined(__clang__) && defined(__x86_64__) && !defined(DATAOBJECTS_SANITIZED)
#define DATAOBJECTS_TARGET_CLONES                                                                            \
    __attribute__((target_clones("default", "arch=x86-64-v3", "arch=x86-64-v4")))
#else
#define DATAOBJECTS_TARGET_CLONES
#endif
