#include "Varnic/Shell/Activation.h"

#include <QByteArray>

namespace varnic {

void useActivationToken(const std::string& token) {
    if (!token.empty()) {
        qputenv("XDG_ACTIVATION_TOKEN", QByteArray::fromStdString(token));
    }
}

} // namespace varnic
