// Regular expressions by Qt.
#include "platform/regular_expression.h"

#include <QRegularExpression>
#include <QString>

namespace platform {

namespace {

QString toolkitText(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// The engine's own "\s" knows ASCII only, and with its Unicode switch one character too many (U+180E). Its own "."
// stops at line feeds alone.
QString inTheEnginesSyntax(std::string_view pattern) {
    return QStringLiteral("(*ANY)") +
           toolkitText(pattern).replace(QStringLiteral("\\s"), QStringLiteral("[\\t-\\r\\x{85}\\p{Z}]"));
}

}  // namespace

struct RegularExpression::Compiled {
    QRegularExpression expression;
};

RegularExpression::RegularExpression(std::string_view pattern)
    : compiled_(std::make_shared<Compiled>(Compiled{QRegularExpression(inTheEnginesSyntax(pattern))})) {}

std::optional<std::string> RegularExpression::firstMatchIn(std::string_view text) const {
    const QRegularExpressionMatch match = compiled_->expression.match(toolkitText(text));
    if (!match.hasMatch()) return std::nullopt;
    return match.captured(0).toStdString();
}

}  // namespace platform
