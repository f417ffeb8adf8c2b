// The floor of a start: an empty window of the same size.
#include <QApplication>
#include <QWidget>

int main(int argc, char** argv) {
    QApplication toolkit(argc, argv);
    QWidget window(nullptr, Qt::Window | Qt::FramelessWindowHint);
    window.setFixedSize(600, 500);
    window.show();
    return QApplication::exec();
}
