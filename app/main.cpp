// zavrel-router: the host application of the zavrel routing library.
#include "app/Application.h"
#include "protocols/RegisterProtocols.h"

int main(int argc, char** argv) {
    // The protocol routers enter the library's registry before anything
    // uses the router manager.
    Zavrel::RegisterProtocols();
    Zavrel::Application application;
    return application.Main(argc, argv);
}
