#include <AxAlgorthm/AxUniqueID.h>

#include <QUuid>

QString CreateUniqueID()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces);
}
