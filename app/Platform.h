#pragma once

/// Settles what the program asks of the platform. Before the application object is made; what the
/// user has chosen by the environment stands.
void preparePlatform();
