// Takes the place of crypto/SHA256Instructions.cpp: a processor without SHA instructions.
#include "crypto/SHA256Blocks.h"

sha256::ProcessBlocks* sha256::ProcessBlocksByInstructions() {
    return nullptr;
}
