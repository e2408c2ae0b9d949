#pragma once

#include "reader.h"

/** The display names of the database client interfaces. */
class DatabaseAPIListReader : public Reader
{
public:
    DatabaseAPIListReader();

};
