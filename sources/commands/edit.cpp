#include "edit.h"

Edit::Edit(int, QObject *parent)
    : QProcess(parent)
{
}

void Edit::execute()
{
}
