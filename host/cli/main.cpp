#include <exception>

#include "cli/CommandLine.h"
#include "cli/Failure.h"

int main(int argc, char** argv) {
  try {
    return qm::cli::Run(argc, argv);
  } catch (const std::exception& failure) {
    qm::cli::TellFailure(failure.what());
    return qm::cli::exsFailed;
  }
}
