// Package start and stop.
