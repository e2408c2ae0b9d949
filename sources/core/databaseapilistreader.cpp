#include "databaseapilistreader.h"

DatabaseAPIListReader::DatabaseAPIListReader()
{
    read(QStringLiteral(":/directions/DatabaseAPI.csv"));
}
