// SPDX-FileCopyrightText: 2026 The KWToolkit authors
// SPDX-License-Identifier: MIT
// A mail that is filled in, in the user's mail program: 04-mail someone@example.org Hello 'How are
// you?'
#include <KWToolkit/KWToolkit.h>

#include <iostream>

int main(int argc, char** argv) {
    if (argc != 2 && argc != 4) {
        std::cerr << "usage: 04-mail RECEIVER [SUBJECT BODY]\n"
                     "Without a subject, asks for feedback on this program.\n";
        return 2;
    }
    kw::NSBundle::mainBundle().declare({.name = "Mail example", .version = "1.0"});
    if (argc == 4)
        kw::KWMailUtils::openMailWithReceiver(argv[1], argv[2], argv[3]);
    else
        kw::KWMailUtils::sendFeedBackEmailTo(argv[1]);
}
