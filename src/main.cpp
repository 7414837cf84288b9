#include "app/Main.h"
#include "app/Desktop.h"

#include <QApplication>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    PrepareDesktop(application);
    Main(ProgramDir(application));
    return 0;
}
