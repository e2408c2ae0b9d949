#include "logging.h"

// QtInfoMsg as the lowest enabled level: debug messages stay off until a rule
// turns them on.
Q_LOGGING_CATEGORY(lcComparator, "navarch.comparator", QtInfoMsg)
Q_LOGGING_CATEGORY(lcConversion, "navarch.conversion", QtInfoMsg)
Q_LOGGING_CATEGORY(lcDiff, "navarch.diff", QtInfoMsg)
Q_LOGGING_CATEGORY(lcEditor, "navarch.editor", QtInfoMsg)
Q_LOGGING_CATEGORY(lcEncodings, "navarch.encodings", QtInfoMsg)
Q_LOGGING_CATEGORY(lcFiles, "navarch.files", QtInfoMsg)
Q_LOGGING_CATEGORY(lcFind, "navarch.find", QtInfoMsg)
