#pragma once

/// Marks what the module's shared library shows to programs that link it.
#if defined(_WIN32)
#if defined(QD_WRT_BUILD)
#define QD_EXPORT __declspec(dllexport)
#else
#define QD_EXPORT __declspec(dllimport)
#endif
#else
#define QD_EXPORT __attribute__((visibility("default")))
#endif
