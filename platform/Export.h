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

/// Likewise of the libraries beside it.
#if defined(_WIN32) && !defined(QD_HEADLESS_BUILD)
#define QD_HEADLESS_EXPORT __declspec(dllimport)
#elif defined(_WIN32)
#define QD_HEADLESS_EXPORT __declspec(dllexport)
#else
#define QD_HEADLESS_EXPORT __attribute__((visibility("default")))
#endif
/// Likewise of the one for Qt.
#if defined(_WIN32) && !defined(QD_QT_BUILD)
#define QD_QT_EXPORT __declspec(dllimport)
#elif defined(_WIN32)
#define QD_QT_EXPORT __declspec(dllexport)
#else
#define QD_QT_EXPORT __attribute__((visibility("default")))
#endif
