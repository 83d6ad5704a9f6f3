#include "demo/storms/Misbehaviour.h"

#include <algorithm>

namespace demo {

const std::vector<Misbehaviour>& Misbehaviours() {
    static const std::vector<Misbehaviour> all = [] {
        std::vector<Misbehaviour> list;
        for (const auto& part : {ConnectionModes(), LineModes(), FloodModes(), DreamModes()})
            list.insert(list.end(), part.begin(), part.end());
        return list;
    }();
    return all;
}

const Misbehaviour* FindMisbehaviour(std::string_view name) {
    const auto& all = Misbehaviours();
    const auto found =
        std::find_if(all.begin(), all.end(), [&](const Misbehaviour& mode) { return mode.name == name; });
    return found == all.end() ? nullptr : &*found;
}

void OrderFreshDream(GameStorm& storm) {
    storm.OrderDream(storm.FreshDream());
}

void OrderFreshDreamLater(GameStorm& storm) {
    storm.Peer().Pause(1.0);
    OrderFreshDream(storm);
}

}  // namespace demo
