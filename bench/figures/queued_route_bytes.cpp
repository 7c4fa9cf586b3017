// Prints the bytes one queued static route holds: its item filed in the
// configuration scheduler, and with its serializer entry and action once the
// scheduler has sent it (the serializer not ready, so every action stays
// queued). A plain program rather than a Google Benchmark one, so that it
// builds for the 32-bit target as well and runs there (or under qemu-arm).
//
//   bench_figure_queued_route_bytes [routes]    (100000 when not given)
#include <cstdio>
#include <cstdlib>

#include "bench/QueuedRoutes.h"
#include "platform/Trace.h"

namespace {

class QuietSink : public Zavrel::TraceSink {
public:
    bool Wants(int) const override { return false; }
    void Write(int, const char*) override {}
};

}  // namespace

int main(int argc, char** argv) {
    unsigned long routes = 100000;
    if (argc > 1) {
        char* end = nullptr;
        routes = std::strtoul(argv[1], &end, 10);
        if (end == argv[1] || *end != '\0' || routes == 0) {
            std::fprintf(stderr, "usage: %s [routes]\n", argv[0]);
            return 2;
        }
    }
    QuietSink quiet;
    Zavrel::SetTraceSink(&quiet);
    Zavrel::bench::QueuedRouteBytes bytes{};
    if (!Zavrel::bench::MeasureQueuedRouteBytes(routes, bytes)) {
        std::fprintf(stderr, "the serializer is ready: actions would not stay queued\n");
        return 1;
    }
    std::printf("pointer_bits %u\n", static_cast<unsigned>(sizeof(void*) * 8));
    std::printf("routes %lu\n", routes);
    std::printf("item_bytes %.1f\n", bytes.item);
    std::printf("queued_route_bytes %.1f\n", bytes.total);
    return 0;
}
