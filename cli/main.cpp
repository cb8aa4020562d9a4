#include "command.h"
#include "sub_commands.h"

namespace {

void addAll(CLI::App& program) {
  using namespace greycard::cli;
  addSimulate(program);
  addInfo(program);
  addChart(program);
  addCcm(program);
  addEvaluate(program);
  addCompare(program);
  addApply(program);
  addProfile(program);
  addBatch(program);
  addGamma(program);
  addLut2d(program);
  addSigma(program);
  addAe(program);
  addWbMap(program);
  addSkin(program);
}

}  // namespace

int main(int argc, char** argv) {
  return greycard::cli::runGreycard(argc, argv, addAll);
}
