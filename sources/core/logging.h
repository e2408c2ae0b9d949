#pragma once

#include <QLoggingCategory>

// Debug output by area. Every category is off by default; turn one on with
// QT_LOGGING_RULES, e.g. QT_LOGGING_RULES="navarch.conversion.debug=true".
Q_DECLARE_LOGGING_CATEGORY(lcComparator) // line comparison
Q_DECLARE_LOGGING_CATEGORY(lcConversion) // the engine and other external programs
Q_DECLARE_LOGGING_CATEGORY(lcDiff)       // file and folder comparison views
Q_DECLARE_LOGGING_CATEGORY(lcEditor)     // the editor
Q_DECLARE_LOGGING_CATEGORY(lcEncodings)  // encoding detection and copies
Q_DECLARE_LOGGING_CATEGORY(lcFiles)      // panels, file lists and file operations
Q_DECLARE_LOGGING_CATEGORY(lcFind)       // find in files
