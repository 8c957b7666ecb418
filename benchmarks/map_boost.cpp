#include <boost/container/map.hpp>

#include "benchmarks/map_sides.h"

namespace lyrsdk::bench {

namespace {

struct Tree : StandardMap<boost::container::map<int, void*>> {
    static constexpr char kName[] = "boost::container::map";
};

const Registration sgRegistration([] { AddMapSides<Tree>(); });

}  // namespace

}  // namespace lyrsdk::bench
