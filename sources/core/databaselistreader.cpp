#include "databaselistreader.h"

DatabaseListReader::DatabaseListReader()
{
    read(QStringLiteral(":/directions/DBDirections.csv"));
}
