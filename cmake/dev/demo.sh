# Part of ./dev: the add-in at work in the stand-in host.
