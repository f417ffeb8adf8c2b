// The floor of a start with text: a window of the same size with one line of text in it.
#include <QApplication>
#include <QLabel>

int main(int argc, char** argv) {
    QApplication toolkit(argc, argv);
    QLabel window(QStringLiteral("Hardware Detector"));
    window.setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
    window.setFixedSize(600, 500);
    window.show();
    return QApplication::exec();
}
