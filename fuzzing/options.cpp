// The options store: whatever the file holds, options load, and saved unchanged they stay the same.
#include <tuple>

#include "Fuzzing.h"
#include "core/options/Options.h"
#include "core/options/OptionsFile.h"
#include "i2c/parallel/PinMapping.h"

namespace tarnwell::fuzzing {

namespace {

struct Window final : PlacedWindow {
    WindowPlace place{0, 0};
    void Place(WindowPlace newPlace) override { place = newPlace; }
    WindowPlace Place() const override { return place; }
};

struct Options {
    ProgramState state;
    Window window;

    explicit Options(mRegistry& store) { LoadOptions(store, state, window); }

    auto All() const {
        return std::tie(window.place.top, window.place.left, state.editTop, state.editLeft,
                        state.archiveFolder, state.numberMode, state.editorWarning,
                        state.portAddress, state.pinOptions);
    }
};

}  // namespace

void Run(std::string_view input) {
    const InputFile file(input);
    OptionsFile store(file.Path());
    Options first(store);
    DecodePinOptions(first.state.pinOptions);
    SaveOptions(store, first.state, first.window);

    const InputFile copy([&] {
        std::ifstream saved(file.Path(), std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(saved), {});
    }());
    OptionsFile again(copy.Path());
    REQUIRE(Options(again).All() == first.All());
}

}  // namespace tarnwell::fuzzing
