// Performance: the floor, an empty window with a label.
#include <QApplication>
#include <QLabel>
#include <QVBoxLayout>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QWidget window;
    auto* layout = new QVBoxLayout(&window);
    layout->addWidget(new QLabel(QStringLiteral("An empty window with a label")));
    window.show();
    return QApplication::exec();
}
