#include "Command.h"

int main(int argc, char** argv) {
    return model_walk::run({argv + 1, argv + argc});
}
