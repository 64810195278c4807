#include "Varnic/Views/Theme/Appearance.h"

namespace varnic {

Appearance::Appearance(QObject* parent) : QObject(parent) {}

} // namespace varnic
