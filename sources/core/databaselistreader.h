#pragma once

#include "reader.h"

/** The display names of the database platforms. */
class DatabaseListReader : public Reader
{
public:
    DatabaseListReader();
};
