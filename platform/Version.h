#pragma once

/// The module's version. Programs are built against one and run with the same.
#define QD_WRT_VERSION "0.1.0"
