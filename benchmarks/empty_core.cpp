// What a program of Qt Core costs that does nothing, beside which the start of peloractl is put.

#include <QCoreApplication>

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    return 0;
}
