#include "platform/qt/window/main_window.h"

#include <QMouseEvent>
#include <QVBoxLayout>
#include <QWindow>

#include "platform/qt/window/desktop_conventions.h"

namespace platform {

MainWindow::MainWindow(const WindowDescription& scene)
    : QWidget(nullptr, Qt::Window), content_(scene.content()), rendered_(content_.body(), this, Color::primary) {
    content_.changes.observe([this] { render(); });
    setWindowTitle(QString::fromStdString(scene.name));
    setFixedSize(scene.width, scene.height);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(rendered_.widget());
    desktopConventions::dress(*this);
}

MainWindow::~MainWindow() { content_.changes.observe({}); }

// At once, so that the next input acts on the new state.
void MainWindow::render() {
    const View view = content_.body();
    if (rendered_.fits(view)) {
        rendered_.update(view, Color::primary);
    } else {
        rendered_.remove();
        rendered_ = RenderedView(view, this, Color::primary);
        layout()->addWidget(rendered_.widget());
    }
}

bool MainWindow::event(QEvent* event) {
    const bool handled = QWidget::event(event);
    if (event->type() == QEvent::ApplicationFontChange) render();
    return handled;
}

void MainWindow::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (event->spontaneous()) return;  // Restored from the task bar: no appearance.
    appearance_ = Appearance::awaitsPaint;
    windowHandle()->installEventFilter(this);
}

// The hook may block, so the first frame must be on screen before. The first update request may come before the window
// is exposed and paint nothing, and Wayland shows no frame while the main thread is blocked. So the first frame counts
// as shown when the window system, having had the exposed window painted, asks for another frame.
bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
    if (appearance_ != Appearance::done && watched == windowHandle() && windowHandle()->isExposed()) {
        if (event->type() == QEvent::Paint) {
            appearance_ = Appearance::awaitsNextFrame;
            windowHandle()->requestUpdate();
        } else if (event->type() == QEvent::UpdateRequest && appearance_ == Appearance::awaitsNextFrame) {
            appearance_ = Appearance::done;
            QMetaObject::invokeMethod(
                this, [this] { appear(); }, Qt::QueuedConnection);
        }
    }
    return QWidget::eventFilter(watched, event);
}

void MainWindow::appear() {
    desktopConventions::putOnScreen(*this);
    const View view = content_.body();  // The action may change what is shown.
    for (const Modifier& modifier : view.modifiers()) {
        if (const auto* hook = std::get_if<OnAppear>(&modifier)) hook->action();
    }
}

// The field, enabled buttons and the scroll bar accept presses. All others come here, also those on texts and the list.
void MainWindow::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    if (windowHandle()->startSystemMove()) return;
    grip_ = event->globalPosition().toPoint() - pos();  // No window manager moves it.
}

void MainWindow::mouseMoveEvent(QMouseEvent* event) {
    if (grip_ && event->buttons().testFlag(Qt::LeftButton)) move(event->globalPosition().toPoint() - *grip_);
}

}  // namespace platform
