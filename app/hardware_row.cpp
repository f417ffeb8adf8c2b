#include "app/hardware_row.h"

using namespace platform;

namespace {

constexpr int labelWidth = 120;  // However long the label is.

}  // namespace

View HardwareRow::body() const {
    return hstack({
                      View(Text{.text = label + ":", .weight = Weight::semibold}).frame(labelWidth, Alignment::leading),
                      View(Text{.text = value, .color = Color::secondary}),
                      spacer(),
                  })
        .spokenAsOne();
}
