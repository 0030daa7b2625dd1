# Who publishes the packages. Everything that names the publisher takes it from here: control file,
# Debian changelog and copyright, metainfo, man pages.
set(PELORA_PUBLISHER "Norvik")
set(PELORA_PRODUCT "Norvik Pelora Utility")
set(PELORA_MAINTAINER_MAIL "pelora@norvik.example")
set(PELORA_HOMEPAGE "https://norvik.example/pelora")
# Where the pictures of docs/pictures/ of a release can be had, for software centres.
set(PELORA_PICTURES "${PELORA_HOMEPAGE}/${PROJECT_VERSION}/pictures")
# The name under which software centres know the program, for good.
set(PELORA_APP_ID "com.norvik.pelora_utility")
