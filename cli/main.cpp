#include "command.h"

int main(int argc, char** argv) {
  return greycard::cli::runGreycard(argc, argv);
}
