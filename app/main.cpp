#include "app/hardware_detector_app.h"

int main() { HardwareDetectorApp::main(); }
