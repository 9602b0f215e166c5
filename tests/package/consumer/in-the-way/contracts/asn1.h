#error "a file of the user, which Ketra must not include"
