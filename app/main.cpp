// zavrel-router: the host application of the zavrel routing library.
#include "app/Application.h"

int main(int argc, char** argv)
{
    Zavrel::Application application;
    return application.Main(argc, argv);
}
