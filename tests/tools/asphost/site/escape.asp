<!-- #include virtual="/../outside.inc" -->
