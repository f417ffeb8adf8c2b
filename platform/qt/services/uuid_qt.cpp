#include "platform/uuid.h"

#include <QUuid>

namespace platform {

std::string randomUuid() { return QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper().toStdString(); }

}  // namespace platform
