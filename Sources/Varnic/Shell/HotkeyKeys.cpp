#include "Varnic/Shell/HotkeyKeys.h"

namespace varnic {

KeyCombination keys(HotkeyChoice choice) {
    switch (choice) {
    case HotkeyChoice::ctrlOptCmdR:
        return {.control = true, .alt = true, .super = true};
    case HotkeyChoice::optShiftR:
        return {.alt = true, .shift = true};
    case HotkeyChoice::ctrlShiftR:
        return {.control = true, .shift = true};
    }
    return {};
}

} // namespace varnic
