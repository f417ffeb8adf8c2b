#include "tests/end_to_end/rig/screenshot.h"

#include <QImage>
#include <QString>

// After the toolkit's headers, which the X library's macros would break.
#include <X11/Xutil.h>

#include "tests/end_to_end/rig/display_connection.h"

namespace end_to_end {

namespace {

struct DestroyImage {
    void operator()(XImage* image) const { XDestroyImage(image); }
};

}  // namespace

bool saveScreenshot(const std::string& display, const std::string& file) {
    const DisplayConnection connection = connectToDisplay(display);
    if (!connection) return false;
    const Window root = DefaultRootWindow(connection.get());
    XWindowAttributes attributes{};
    if (XGetWindowAttributes(connection.get(), root, &attributes) == 0) return false;
    const std::unique_ptr<XImage, DestroyImage> image(
        XGetImage(connection.get(), root, 0, 0, static_cast<unsigned>(attributes.width),
                  static_cast<unsigned>(attributes.height), AllPlanes, ZPixmap));
    if (!image || image->bits_per_pixel != 32) return false;
    const auto* const pixels = static_cast<const uchar*>(static_cast<const void*>(image->data));
    const QImage picture(pixels, image->width, image->height, image->bytes_per_line, QImage::Format_RGB32);
    return picture.save(QString::fromStdString(file), "PNG");
}

bool showsTheBlueButton(const std::string& file) {
    const QImage picture = QImage(QString::fromStdString(file)).convertToFormat(QImage::Format_RGB32);
    int blue = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) blue += picture.pixel(x, y) == qRgb(0, 122, 255) ? 1 : 0;
    }
    return blue > 1'000;
}

}  // namespace end_to_end
