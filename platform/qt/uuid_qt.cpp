#include <QUuid>

#include "platform/uuid.h"

namespace platform {

std::string randomUuid() { return QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper().toStdString(); }

}  // namespace platform
