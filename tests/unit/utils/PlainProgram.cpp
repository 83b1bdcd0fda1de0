// A program to be looked at, not run.
int main()
{
    return 0;
}
